#pragma once

#include "panels/model/panel.h"

void drawStatusLine(Panel& panel);
