#pragma once

// Asks which questions are asked; Esc leaves that as it was. Application thread.
void confirmationsDialog();
