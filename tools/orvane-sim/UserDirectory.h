#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

// The server's accounts: each user a dictionary with a random "salt" and the
// SHA-256 of salt and password ("password_sha256"), both hexadecimal. No
// password is ever kept in clear.
class UserDirectory final
{
public:
    explicit UserDirectory(QVariantMap users)
        : m_users(std::move(users))
    { }

    bool authenticate(const QString &user, const QByteArray &password) const;

    // A new account entry with a fresh salt.
    static QVariantMap makeAccount(const QByteArray &password, const QString &fullName);

private:
    static QByteArray digest(const QByteArray &salt, const QByteArray &password);

    QVariantMap m_users;
};
