#pragma once

#include "Table.h"

// All tables, one a menu or a piece that menus share.
namespace walk::tables {

// From the console's entry to its end.
const Table& processMenu();
const Table& controlDialogue();
const Table& providerLogMenu();
const Table& mediaLogMenu();
const Table& logViewer();
const Table& simpleMenu();

// The pipeline test console and, in the order of its menu, what it leads to.
const Table& testConsole();
const Table& referenceCount();
const Table& mute();
const Table& hdmiAnalysis();
const Table& dtvMode();
const Table& setSource();
const Table& preparationLogic();
const Table& setTvMode();
const Table& cropVideo();
const Table& caption();
const Table& setPreviewSource();
const Table& signalTunePreparation();
const Table& epgDataFeeding();
const Table& zoomControl();
const Table& invalidService();
const Table& bootupService();

// Looking services up: "id" has what was found, the invalid one where nothing was.
const Table& readServiceId();
const Table& findByMajor();
const Table& findOnAir();
const Table& listServices();

// The line that a signal makes the console write.
const Table& signalLine();

} // namespace walk::tables
