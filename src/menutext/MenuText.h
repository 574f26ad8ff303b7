#pragma once

#include <string>

// The frame of the console's menus.

constexpr char kDoubleRule[] = "====================================\n";
constexpr char kSingleRule[] = "------------------------------------\n";
constexpr char kExitRow[] = " 99 : Exit\n";
// Kept: two menus have it without the blank.
constexpr char kExitRowAtTheEdge[] = "99 : Exit\n";

// A whole menu: `title` and `items` (complete lines) in the frame, to be written in one piece.
inline std::string framedMenu(const char* title, const char* items) {
    std::string menu;
    menu += kDoubleRule;
    menu += title;
    menu += kSingleRule;
    menu += items;
    menu += kSingleRule;
    menu += kExitRow;
    menu += kDoubleRule;
    return menu;
}
