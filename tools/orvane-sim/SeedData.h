#pragma once

#include <QVariantMap>

// The state a fresh simulator starts from.
class SeedData final
{
public:
    // "demo" / "lumex" and "lecturer" / "chalkboard".
    static QVariantMap users();

    // Root dictionary with "workflows". One title carries a tool-tip after
    // the "\n$$$$\n" separator, and two workflows share a title, as real
    // servers have them.
    static QVariantMap workflows();

    // Root dictionary with "cameras": the rooms the server drives.
    static QVariantMap cameras();
};
