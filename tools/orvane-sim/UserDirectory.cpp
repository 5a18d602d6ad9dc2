#include "UserDirectory.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

bool UserDirectory::authenticate(const QString &user, const QByteArray &password) const
{
    if (user.isEmpty() || password.isEmpty())
        return false;
    const QVariantMap account = m_users.value(user).toMap();
    const QByteArray salt = QByteArray::fromHex(account.value(QStringLiteral("salt")).toByteArray());
    const QByteArray stored = QByteArray::fromHex(account.value(QStringLiteral("password_sha256")).toByteArray());
    if (salt.isEmpty() || stored.isEmpty())
        return false;

    // Compare every byte so that timing says nothing about where a guess
    // went wrong.
    const QByteArray computed = digest(salt, password);
    if (computed.size() != stored.size())
        return false;
    unsigned char difference = 0;
    for (qsizetype i = 0; i < computed.size(); ++i)
        difference |= static_cast<unsigned char>(computed[i] ^ stored[i]);
    return difference == 0;
}

QVariantMap UserDirectory::makeAccount(const QByteArray &password, const QString &fullName)
{
    QByteArray salt(16, Qt::Uninitialized);
    QRandomGenerator::system()->fillRange(reinterpret_cast<quint32 *>(salt.data()), salt.size() / 4);
    return {
        { QStringLiteral("full_name"), fullName },
        { QStringLiteral("salt"), QString::fromLatin1(salt.toHex()) },
        { QStringLiteral("password_sha256"), QString::fromLatin1(digest(salt, password).toHex()) },
    };
}

QByteArray UserDirectory::digest(const QByteArray &salt, const QByteArray &password)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(salt);
    hash.addData(password);
    return hash.result();
}
