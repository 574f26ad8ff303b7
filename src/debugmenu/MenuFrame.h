#pragma once

// The lines that frame every menu of the driver.
constexpr char kFrameRule[] = "====================================\n";
constexpr char kSectionRule[] = "------------------------------------\n";
constexpr char kExitRow[] = " 99 : Exit\n";
