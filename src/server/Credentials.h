#pragma once

#include <QString>

// Who signs in where. The password stays in memory and goes only to the
// server tool's standard input.
struct Credentials
{
    QString user;
    QString password;
    QString server;
};
