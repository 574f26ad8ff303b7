#pragma once

#include "WordSource.h"

#include <functional>
#include <streambuf>
#include <string_view>

namespace host {

// The buffer behind std::cin: hands the plug-in what the word source gives. Used by the thread that
// runs the plug-in only.
//
// Consoles repeat their menu for ever at end of input, and some take a failed read for an answer.
// So the end is not shown: after the last byte comes a line end, which lets the last word have its
// effect, and whoever asks once more is met by `atEnd`, which is expected not to return. (Where it
// does return, the stream ends as any other.)
class TCInputBuffer : public std::streambuf {
public:
    struct TSHooks {
        std::function<void()> m_BeforeWait; // called before the source is asked, which may block
        std::function<void()> m_AtEnd;      // called when a word is asked for and none is left
        // Called with each word as the console comes to read it, and with a line end after it.
        // Where it is empty, whole blocks are handed on, which is quicker.
        std::function<void(std::string_view)> m_Typed;
    };

    // `source` is not owned.
    TCInputBuffer(IWordSource& source, TSHooks hooks);

protected:
    int_type underflow() override;

private:
    bool Fill();
    std::string_view TakePiece();

    IWordSource& m_Source;
    TSHooks m_Hooks;
    std::string_view m_Rest;   // of the source's block, not handed out yet
    bool m_AtLineStart = true; // the last byte handed out was a line end, or there was none
    bool m_InWord = false;     // the piece handed out last ended inside a word
    bool m_Ended = false;      // the source has ended: it is not asked again
};

} // namespace host
