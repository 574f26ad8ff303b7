#include "Tables.h"

namespace walk::tables {

const Table& cropVideo() {
    static const Table table = {
        "crop video",
        {
            create("video", "VideoControl", "1001, 0"),
            call("$video.SetCropVideo({540, 380, 100, 100}, {1520, 680, 400, 400})"),
            destroy("video"),
        }};
    return table;
}

} // namespace walk::tables
