#pragma once

// Main menu items that have no menu of their own and need nothing of TCDebugMenuTPMS. All work on
// the main pipeline.

void checkCurrentTPMSStatus();
void setTvModeToDTVAir();
void restartVideoDecoder();
void checkTunerSignal();
void printLatestServiceIds();
