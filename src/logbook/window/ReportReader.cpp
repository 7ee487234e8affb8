#include "logbook/window/ReportReader.h"

#include "core/session/DbSession.h"
#include "core/texts/Errors.h"
#include "dao/Workspace.h"

#include <exception>

ReportReader::ReportReader(IDbSession& session, const IStringSource& strings)
    : m_session(session),
      m_strings(strings),
      m_turn(std::make_shared<std::atomic<int>>(0))
{
}

ReportReader::~ReportReader()
{
    End();
}

void ReportReader::End()
{
    ++*m_turn;
    m_isReading = false;
    m_lane.reset();
}

void ReportReader::Read(const Job& job)
{
    const int turn = ++*m_turn;
    std::function<std::unique_ptr<dao::Workspace>()> open;
    try {
        open = m_session.Workspace().Again();
    } catch (...) {
        return Fail(std::current_exception());
    }
    m_isReading = true;
    if (!m_lane)
        m_lane = std::make_unique<Lane>(Lane::Kind::OwnThread);
    m_lane->Do([this, open, job, turn, current = m_turn]() -> Lane::Answer {
        const auto goOn = [turn, current] { return *current == turn; };
        if (!goOn())
            return {};
        try {
            const auto workspace = open();
            const Lane::Answer answer = job(workspace->Database(), goOn);
            return [this, answer, goOn] {
                if (!goOn())
                    return;
                m_isReading = false;
                answer();
            };
        } catch (...) {
            return [this, goOn, failure = std::current_exception()] {
                if (goOn())
                    Fail(failure);
            };
        }
    });
}

void ReportReader::Fail(const std::exception_ptr& failure)
{
    m_isReading = false;
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& reason) {
        Q_EMIT Failed(DescribeError(reason, m_strings));
    }
}
