#pragma once

// The dialogs of the options, and what follows from their answers for the panels and the screen.
// Application thread.
void chooseConfiguration();
void chooseColours();
