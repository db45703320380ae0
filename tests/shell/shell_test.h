#pragma once

#include "panels/two_panels.h"

using ShellTest = TwoPanelsTest;
