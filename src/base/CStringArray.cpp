#include "CStringArray.h"

extern char **environ;

CStringArray CStringArray::environment()
{
    CStringArray env;
    for (char **e = environ; *e; ++e)
        env.append(QByteArray(*e));
    return env;
}
