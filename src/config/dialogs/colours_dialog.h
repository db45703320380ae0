#pragma once

// Lets the user change the colour table, whose entries change at once. 0 after OK; -1 after Cancel
// and at the end of the program, with the table as it was. Whoever calls it draws what shows in the
// new colours. Application thread.
int coloursDialog();
