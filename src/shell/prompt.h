#pragma once

#include "panels/model/panel.h"

// The prompt that stands for a panel: its path, shortened, and ">".
Westring promptOf(const Panel& panel);
