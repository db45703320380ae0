#pragma once

#include "fileops/file_date.h"

// Asks for a date and a time, in the order and the hours of the settings, starting with `fields`,
// until they are valid. False on Esc. `subject`: what gets the date.
bool askDate(const Westring& subject, DateFields& fields);
