// A long reply: 10,000 menu items with names of 24 bytes, plus the daemon's own, from vector to
// vector.

#include <norvex/core/MessageBuffer.h>

#include "DebugPrintControlProxy.h"
#include "Figure.h"
#include "GDBusPeer.h"
#include "MarshalableOneDimensionContainer.h"
#include "Rounds.h"
#include "SdBusPeer.h"
#include "SimulatedTv.h"

namespace {

using Items = std::vector<TSMenuItem>;
using MarshalableItems = TCMarshalableOneDimensionContainer<Items, TSMenuItem>;

constexpr int kItems = 10000;
constexpr int kCalls = 10;
constexpr int kRounds = 15;

void Write(Items& items, TCMessageBuffer& buffer) {
    MarshalableItems all(&items, new TCMarshalableNodeCreator, false);
    if (!all.Store(&buffer))
        bench::GiveUp("the items could not be written");
}

void Read(Items& items, TCMessageBuffer& buffer) {
    MarshalableItems all(&items, new TCMarshalableNodeCreator, false);
    if (!all.Load(&buffer) || items.size() < kItems)
        bench::GiveUp("the items could not be read");
}

sd_bus_message* SdBusMessage(sd_bus* bus, const Items& items) {
    sd_bus_message* message = nullptr;
    if (sd_bus_message_new_signal(bus, &message, "/o", "a.b", "Items") < 0)
        bench::GiveUp("no sd-bus message");
    bench::AppendItems(message, items);
    if (sd_bus_message_seal(message, 1, 0) < 0)
        bench::GiveUp("no sd-bus message");
    return message;
}

} // namespace

int main() {
    const bench::SimulatedTv tv({"--items", std::to_string(kItems)});
    TCDebugPrintControlProxy control(bench::kInterface);
    bench::Answers answers;
    answers.items = control.GetMenuItems();
    const std::size_t count = answers.items.size();
    if (count < kItems)
        bench::GiveUp("the daemon has fewer items than asked for");
    bench::SdBusPeer sdBus(answers);
    bench::GDBusPeer gdBus(answers);
    sdBus.Connect();
    gdBus.Connect();

    const auto call = [count](auto& peer) {
        return bench::NanosecondsEach(kCalls,
                                      [&] {
                                          if (peer.GetMenuItems().size() != count)
                                              bench::GiveUp("the items did not all arrive");
                                      }) /
               1000;
    };
    const std::vector<double> calls = bench::MedianOfRounds({{"GetMenuItems", [&] { return call(control); }},
                                                             {"sd-bus", [&] { return call(sdBus); }},
                                                             {"GDBus", [&] { return call(gdBus); }}},
                                                            kRounds);

    bench::Figure reply;
    reply.name = "menu_items_10000";
    reply.unit = "us";
    reply.value = calls[0];
    reply.peers = {{"sd-bus peer to peer", calls[1]}, {"GDBus peer to peer", calls[2]}};
    reply.ratio = calls[0] / calls[1];
    reply.limit = 0.35;

    TCMessageBuffer buffer;
    Write(answers.items, buffer);
    sd_bus_message* message = SdBusMessage(sdBus.GetBus(), answers.items);
    const auto perItem = [count](auto&& what) {
        return [count, what] { return bench::NanosecondsEach(kCalls, what) / static_cast<double>(count); };
    };
    const std::vector<double> codec = bench::MedianOfRounds(
        {{"encode", perItem([&] {
              TCMessageBuffer fresh;
              Write(answers.items, fresh);
          })},
         {"decode", perItem([&] {
              Items items;
              Read(items, buffer);
          })},
         {"sd-bus encodes", perItem([&] { sd_bus_message_unref(SdBusMessage(sdBus.GetBus(), answers.items)); })},
         {"sd-bus decodes", perItem([&] {
              if (sd_bus_message_rewind(message, 1) < 0 || bench::ReadItems(message).size() != count)
                  bench::GiveUp("sd-bus did not read the items");
          })}},
        kRounds);
    sd_bus_message_unref(message);

    bench::Figure encode;
    encode.name = "menu_item_encode";
    encode.unit = "ns/item";
    encode.value = codec[0];
    encode.peers = {{"sd-bus message", codec[2]}};
    encode.ratio = codec[0] / codec[2];
    encode.limit = 1.0;
    bench::Figure decode;
    decode.name = "menu_item_decode";
    decode.unit = "ns/item";
    decode.value = codec[1];
    decode.peers = {{"sd-bus message", codec[3]}};
    decode.ratio = codec[1] / codec[3];
    decode.limit = 1.0;
    return bench::PrintFigures({reply, encode, decode}) ? 0 : 1;
}
