#include "map27/check/CheckReport.h"

#include "map27/trace/FlatJson.h"

#include <algorithm>

namespace map27 {

namespace {

using Verdict = CheckReport::Verdict;

const char* WordOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Good:
        return "ok";
    case Verdict::Noted:
        return "note";
    case Verdict::Deviates:
        return "deviates";
    case Verdict::NoAnswer:
        return "no answer";
    case Verdict::LeftOut:
        break;
    }
    return "left out";
}

const char* WordOf(Finding::Weight weight)
{
    return weight == Finding::Weight::Breach ? "deviates" : "note";
}

std::string Padded(std::string_view text, std::size_t width)
{
    std::string padded(text);
    padded.resize(std::max(width, padded.size()), ' ');
    return padded + ' ';
}

std::string Row(std::string_view word, std::string_view name, const std::string& text)
{
    return "  " + Padded(word, 9) + Padded(name, 22) + text + '\n';
}

std::string MsText(Milliseconds time)
{
    return std::to_string(time.count()) + " ms";
}

std::string TimesText(const CheckReport::Times& times)
{
    if (times.all.empty())
        return "none";
    return std::to_string(times.all.size()) + ", half of them within " + MsText(times.Quantile(50)) +
           ", all within " + MsText(times.Quantile(100));
}

std::string Member(std::string_view name, std::string_view text)
{
    return JsonQuoted(name) + ": " + JsonQuoted(text);
}

std::string TimesJson(std::string_view name, const CheckReport::Times& times)
{
    return JsonQuoted(name) + ": {\"count\": " + std::to_string(times.all.size()) +
           ", \"median_ms\": " + std::to_string(times.Quantile(50).count()) +
           ", \"longest_ms\": " + std::to_string(times.Quantile(100).count()) + '}';
}

template <typename Elements, typename Write> std::string List(const Elements& elements, Write write)
{
    std::string text = "[";
    for (const auto& element : elements)
        text += (text.size() > 1 ? ",\n    {" : "\n    {") + write(element) + '}';
    return text + "\n  ]";
}

} // namespace

Milliseconds CheckReport::Times::Quantile(int percent) const
{
    if (all.empty())
        return Milliseconds{0};
    std::vector<Milliseconds> sorted = all;
    std::ranges::sort(sorted);
    return sorted[(sorted.size() - 1) * static_cast<std::size_t>(percent) / 100];
}

void CheckReport::Add(std::string_view name, Verdict verdict, std::string text,
                      std::optional<Milliseconds> took)
{
    items.push_back({name, verdict, std::move(text), took});
}

void CheckReport::Add(const Finding& finding)
{
    const auto same =
        std::ranges::find_if(struck, [&](const Struck& known) { return known.first.kind == finding.kind; });
    if (same == struck.end())
        struck.push_back({finding});
    else
        ++same->count;
}

bool CheckReport::HasEmergency() const
{
    return std::ranges::any_of(
        received, [](const Arrival& one) { return one.isEmergency; });
}

int CheckReport::Deviations() const
{
    const auto items_ = std::ranges::count_if(
        items,
        [](const Item& item) {
            return item.verdict == Verdict::Deviates || item.verdict == Verdict::NoAnswer;
        });
    const auto kinds = std::ranges::count_if(
        struck, [](const Struck& one) { return one.first.weight == Finding::Weight::Breach; });
    return static_cast<int>(items_ + kinds);
}

std::string CheckReportText(const CheckReport& report, const CheckFrame& frame)
{
    std::string text = "Radio check by " + frame.program + ", " + frame.time + '\n' + "Port " + frame.port +
                       ", " + std::to_string(frame.bitsPerSecond) + " bit/s\n\n";
    for (const CheckReport::Item& item : report.items)
        text += Row(WordOf(item.verdict), item.name,
                    item.text + (item.took ? " (" + MsText(*item.took) + ')' : ""));
    if (!report.received.empty())
        text += "\nWhat came in meanwhile, and is shown here only:\n";
    for (const CheckReport::Arrival& one : report.received)
        text += Row(one.isEmergency ? "EMERGENCY" : "message", "after " + MsText(one.at), one.text);
    text += "\nWhat struck about the radio's frames:\n";
    for (const CheckReport::Struck& one : report.struck)
        text += Row(WordOf(one.first.weight), one.first.kind,
                    std::to_string(one.count) + " times, first: " + one.first.text);
    if (report.struck.empty())
        text += "  nothing\n";
    text += "\nAcknowledgements of the link: " + TimesText(report.acknowledgements) + '\n' +
            "Answers to questions: " + TimesText(report.answers) + '\n' +
            "Links lost unasked: " + std::to_string(report.linksLost) + '\n' +
            "Deviations from the standard: " + std::to_string(report.Deviations()) + '\n';
    return text;
}

std::string CheckReportJson(const CheckReport& report, const CheckFrame& frame)
{
    const auto item = [](const CheckReport::Item& one) {
        return Member("name", one.name) + ", " + Member("verdict", WordOf(one.verdict)) + ", " +
               Member("text", one.text) + (one.took ? ", \"ms\": " + std::to_string(one.took->count()) : "");
    };
    const auto struck = [](const CheckReport::Struck& one) {
        return Member("name", one.first.kind) + ", " + Member("verdict", WordOf(one.first.weight)) +
               ", \"count\": " + std::to_string(one.count) + ", " + Member("text", one.first.text);
    };
    const auto received = [](const CheckReport::Arrival& one) {
        return "\"ms\": " + std::to_string(one.at.count()) +
               ", \"emergency\": " + (one.isEmergency ? "true" : "false") + ", " + Member("text", one.text);
    };
    return "{\n  " + Member("program", frame.program) + ",\n  " + Member("time", frame.time) + ",\n  " +
           Member("port", frame.port) + ",\n  \"speed\": " + std::to_string(frame.bitsPerSecond) +
           ",\n  \"items\": " + List(report.items, item) +
           ",\n  \"received\": " + List(report.received, received) +
           ",\n  \"struck\": " + List(report.struck, struck) + ",\n  " +
           TimesJson("acknowledgements", report.acknowledgements) + ",\n  " +
           TimesJson("answers", report.answers) + ",\n  \"links_lost\": " + std::to_string(report.linksLost) +
           ",\n  \"deviations\": " + std::to_string(report.Deviations()) + "\n}\n";
}

} // namespace map27
