#pragma once

#include "panels/model/panel.h"

// Stores the code in the panel and its option, sorts or re-reads, keeps the cursor's name, redraws.
void setSort(Panel& panel, int code);
