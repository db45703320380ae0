#pragma once

#include "foundation/westring.h"
#include "ui/help_window.h"

// What F1 tells while this file is edited: menus and the configuration have topics of their own.
HelpTopic helpTopicOf(const Westring& file);
