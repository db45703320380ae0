#pragma once

#include <ctime>

#include "foundation/westring.h"

// Asks for a date and a time, in the order and the hours of the settings, starting with `date`,
// until they are valid. False on Esc. `subject`: what gets the date.
bool askDate(const Westring& subject, time_t& date);
