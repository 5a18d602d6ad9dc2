#pragma once

#include <QVariantMap>

#include <optional>

// One entry of the fault file: how a command should misbehave this time.
// Its effects come in a fixed order: hang, flood standard error, flood
// standard output, die by a signal, print the texts, exit with the status.
class Fault final
{
public:
    Fault() = default;
    explicit Fault(QVariantMap settings)
        : m_settings(std::move(settings))
    { }

    bool isNull() const { return m_settings.isEmpty(); }
    bool appliesBeforeAuthentication() const;

    // Everything up to, not including, the exit. Does not return when the
    // fault names a signal.
    void perform() const;

    // The status to exit with instead of doing the command, if any.
    std::optional<int> exitStatus() const;

    // List commands print their progress text but no property list.
    bool suppressesPropertyList() const;

    // A submission is queued but its upload ends in "error".
    bool failsUpload() const;

private:
    QVariant setting(const char *key) const { return m_settings.value(QLatin1String(key)); }

    QVariantMap m_settings;
};
