#pragma once

#include "LXLoginPanelController.h"
#include "SimSandbox.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

// Signs in to the simulator as its demo user the way a person does: the three
// fields, then Connect. What to wait for afterwards is the caller's choice.
inline void signInAsDemo(LXUserLoginPanelController *panel)
{
    panel->hostnameField()->setText(SimSandbox::kServerHost);
    panel->usernameField()->setText(SimSandbox::kUser);
    panel->passwordField()->setText(SimSandbox::kPassword);
    QTest::mouseClick(panel->connectButton(), Qt::LeftButton);
}
