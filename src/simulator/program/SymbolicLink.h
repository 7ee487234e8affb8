#pragma once

#include <QString>

namespace sim {

// A symbolic link that exists as long as this object.
class SymbolicLink {
public:
    // Replaces an existing link but nothing else. Throws PortError.
    explicit SymbolicLink(QString path) : m_path(std::move(path)) {}
    ~SymbolicLink();
    SymbolicLink(const SymbolicLink&) = delete;
    SymbolicLink& operator=(const SymbolicLink&) = delete;

    void PointTo(const QString& target);
    const QString& Path() const { return m_path; }

private:
    QString m_path;
    QString m_target; // empty: not made yet
};

} // namespace sim
