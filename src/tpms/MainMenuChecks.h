#pragma once

// Items of the main menu that make one call or a few and have no menu of their own. All work on
// the main pipeline.

void checkCurrentTPMSStatus();
void setTvModeToDTVAir();
void restartVideoDecoder();
void checkTunerSignal();
void printLatestServiceIds();
