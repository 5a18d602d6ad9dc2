#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

// A null-terminated array of C strings (an argv or envp for exec), owning
// its strings.
class CStringArray final
{
public:
    CStringArray() = default;
    explicit CStringArray(const QStringList &strings)
    {
        for (const QString &s : strings)
            append(s);
    }

    void append(const QString &s) { m_storage.push_back(s.toLocal8Bit()); }
    void append(const QByteArray &s) { m_storage.push_back(s); }

    // Valid until the next append.
    char **data()
    {
        m_pointers.clear();
        m_pointers.reserve(m_storage.size() + 1);
        for (QByteArray &s : m_storage)
            m_pointers.push_back(s.data());
        m_pointers.push_back(nullptr);
        return m_pointers.data();
    }
    const char *first() const { return m_storage.empty() ? nullptr : m_storage.front().constData(); }

    // The calling process's own environment.
    static CStringArray environment();

private:
    std::vector<QByteArray> m_storage;
    std::vector<char *> m_pointers;
};
