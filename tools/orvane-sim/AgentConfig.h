#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

// One of the capture agent's configuration files, a dictionary of string
// keys. Changes are read-modify-write, so they belong under the state lock.
class AgentConfig final
{
public:
    explicit AgentConfig(QString path)
        : m_path(std::move(path))
    { }

    QString path() const { return m_path; }

    // The dictionary; empty when the file is missing or unreadable.
    QVariantMap values() const;

    // Throw ToolFailure when the file cannot be written; the folder is made
    // as needed.
    void set(const QVariantMap &changes) const;
    void remove(const QStringList &keys) const;

private:
    void write(const QVariantMap &contents) const;

    QString m_path;
};
