#pragma once

#include "tour/TourStep.h"
#include "tour/TourTexts.h"
#include "tour/TourWord.h"

#include <vector>

// Reads the steps of a tour from text. One line a step, deed or look:
//
//     step logged-on: the callsign in the status bar
//         put "secret" into txtPassword
//         click cmdOK
//         callsign holds "Dispatch" within 5 s
//         not see frmLogon
//
// besides lines that begin with "#", "include FILE", and "text NAME NUMBER", which names a text of the
// catalogue.
class TourScript {
public:
    // Every word that a step may use. The first shape that fits a line is taken.
    TourScript(const std::vector<TourWord>& words, TourTexts texts);

    // Raises Error with file and line for a script that is not in order. Nothing is done yet.
    std::vector<TourStep> Read(const QString& file);

private:
    void ReadFile(const QString& path);
    void ReadLine(const QString& line);
    TourLine Take(QString line) const;
    const TourWord* Find(const QString& line, QStringList& values) const;
    [[noreturn]] void Refuse(const QString& line) const;
    void BeginStep(const QString& heading);
    void EndStep() const;

    std::vector<TourWord> m_words;
    std::vector<QRegularExpression> m_patterns; // of the words
    TourTexts m_texts;
    std::vector<TourStep> m_steps;
    QStringList m_open; // files being read, the innermost last
    QString m_place;    // the line being read, for errors
};
