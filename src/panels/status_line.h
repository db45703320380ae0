#pragma once

#include "panels/panel.h"

void drawStatusLine(Panel& panel);
