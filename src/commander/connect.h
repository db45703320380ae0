#pragma once

// Gives the lower layers what their interfaces stand for. Called once, before anything uses them.
void connectModules();
