// The order of virtual operations is what a caller that was built against the same declarations
// relies on. Each is reached here as such a caller reaches it: by its number in the virtual table.
// (Itanium ABI: the destructor takes the first two slots.)

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/Marshalable.h>
#include <norvex/core/NodeCreator.h>
#include <norvex/core/TreeToClassFormatter.h>

#include "DebugPrintControlProxy.h"
#include "FakeConnection.h"
#include "FakeCore.h"
#include "FakeTree.h"
#include "MarshalableOneDimensionContainer.h"
#include "MarshalableString.h"
#include "Timeline.h"

#if defined(__x86_64__) || defined(__aarch64__)

namespace {

constexpr int kDeletingDestructor = 1;
constexpr int kFirstOperation = 2;

// The n-th operation after the destructor.
template <typename Function> Function* operation(const void* object, int number) {
    void* const* table = *static_cast<void* const* const*>(object);
    return reinterpret_cast<Function*>(table[number + kFirstOperation - 1]);
}

void destroyThroughSlot(void* object) {
    void* const* table = *static_cast<void* const* const*>(object);
    reinterpret_cast<void (*)(void*)>(table[kDeletingDestructor])(object);
}

std::string methodCalled() {
    const std::vector<std::string> calls = Timeline::now().calls();
    Timeline::now().clear();
    if (calls.size() != 1)
        return std::to_string(calls.size()) + " calls";
    const std::size_t begin = calls[0].find(", ", calls[0].find(", ") + 2) + 2;
    return calls[0].substr(begin, calls[0].find(',', begin) - begin);
}

// Notes which operation was reached.
class NotingMarshalable : public TCMarshalable {
public:
    explicit NotingMarshalable(std::string& note) : m_note(note) {}
    ~NotingMarshalable() override { m_note = "destructor"; }
    bool GetSizeOfMarshalled(unsigned long&) override { return note("GetSizeOfMarshalled"); }
    bool ClassToTree(TCTreeBranch&) override { return note("ClassToTree"); }
    bool TreeToClass(TCTreeBranch&) override { return note("TreeToClass"); }
    int GetMarshalableStorageType() override { return note("GetMarshalableStorageType"); }
    bool Store(TCMessageBuffer*) override { return note("Store"); }
    bool Load(TCMessageBuffer*) override { return note("Load"); }

private:
    bool note(const char* name) {
        m_note = name;
        return true;
    }
    std::string& m_note;
};

class NotingFormatter : public TCTreeFormatter {
public:
    explicit NotingFormatter(std::string& note) : m_note(note) {}
    ~NotingFormatter() override { m_note = "destructor"; }
    bool PushValue(short, int, void*) override { return note("PushValue"); }
    bool PushArray(short, int, int, void*) override { return note("PushArray"); }
    bool PushLengthArray(short, int, void*, TILengthInfoContainer*) override {
        return note("PushLengthArray");
    }
    bool PushMarshalableClass(short, TIMarshalable*) override {
        return note("PushMarshalableClass");
    }
    bool Extract() override { return note("Extract"); }
    bool FillOut() override { return note("FillOut"); }

private:
    bool note(const char* name) {
        m_note = name;
        return true;
    }
    std::string& m_note;
};

} // namespace

TEST(SlotOrder, DebugPrintControl) {
    IDebugPrintControl* control = new TCDebugPrintControlProxy("com.example.IControl");
    Timeline::now().clear();
    std::string screen;
    const std::string command = "c";
    int value = 0;
    const std::vector<TSMenuItem> items;
    const TSMenuItem item;

    operation<int(void*, std::string&)>(control, 1)(control, screen);
    EXPECT_EQ(methodCalled(), "Start");
    operation<int(void*, const std::string&, std::string&)>(control, 2)(control, command, screen);
    EXPECT_EQ(methodCalled(), "Execute");
    operation<int(void*, int&)>(control, 3)(control, value);
    EXPECT_EQ(methodCalled(), "Check");
#if defined(__x86_64__)
    // The result's place goes before the object, as a first argument.
    operation<std::vector<TSMenuItem>(void*)>(control, 4)(control);
    EXPECT_EQ(methodCalled(), "GetMenuItems");
#endif
    operation<bool(void*, const std::vector<TSMenuItem>&)>(control, 5)(control, items);
    EXPECT_EQ(methodCalled(), "SetMenuItems");
    operation<bool(void*, const TSMenuItem&)>(control, 6)(control, item);
    EXPECT_EQ(methodCalled(), "SetMenuItem");
    operation<bool(void*, bool)>(control, 7)(control, true);
    EXPECT_EQ(methodCalled(), "SetQoSEnabled");
    operation<bool(void*)>(control, 8)(control);
    EXPECT_EQ(methodCalled(), "IsQoSEnabled");
    operation<bool(void*, EDebugMode, bool)>(control, 9)(control, EDebugMode(1), true);
    EXPECT_EQ(methodCalled(), "SetDebugMode");
    operation<bool(void*, EDebugMode)>(control, 10)(control, EDebugMode(1));
    EXPECT_EQ(methodCalled(), "IsDebugModeEnabled");
    operation<int(void*)>(control, 11)(control);
    EXPECT_EQ(methodCalled(), "Stop");

    destroyThroughSlot(control);
    EXPECT_EQ(Timeline::now().calls(), std::vector<std::string>{"~NorvexAPIConnection"});
    EXPECT_EQ(FakeConnection::alive(), 0);
}

TEST(SlotOrder, Marshalable) {
    std::string note;
    TIMarshalable* object = new NotingMarshalable(note);
    FakeBranch branch;
    unsigned long size = 0;
    operation<bool(void*, unsigned long&)>(object, 1)(object, size);
    EXPECT_EQ(note, "GetSizeOfMarshalled");
    operation<bool(void*, TCTreeBranch&)>(object, 2)(object, branch);
    EXPECT_EQ(note, "ClassToTree");
    operation<bool(void*, TCTreeBranch&)>(object, 3)(object, branch);
    EXPECT_EQ(note, "TreeToClass");
    operation<int(void*)>(object, 4)(object);
    EXPECT_EQ(note, "GetMarshalableStorageType");
    operation<bool(void*, TCMessageBuffer*)>(object, 5)(object, nullptr);
    EXPECT_EQ(note, "Store");
    operation<bool(void*, TCMessageBuffer*)>(object, 6)(object, nullptr);
    EXPECT_EQ(note, "Load");
    destroyThroughSlot(object);
    EXPECT_EQ(note, "destructor");
}

TEST(SlotOrder, MarshalableStringStandsInTheSameSlots) {
    std::string text = "abc";
    TCMarshalableString wrapper(&text);
    unsigned long size = 0;
    EXPECT_TRUE((operation<bool(void*, unsigned long&)>(&wrapper, 1)(&wrapper, size)));
    EXPECT_EQ(size, 3u);
    FakeBranch written;
    EXPECT_TRUE((operation<bool(void*, TCTreeBranch&)>(&wrapper, 2)(&wrapper, written)));
    EXPECT_EQ(FakeTree::describe(written), "{0=value 03000000, 1=bytes \"abc\"}");
    FakeBranch read;
    read.becomeText("new");
    EXPECT_TRUE((operation<bool(void*, TCTreeBranch&)>(&wrapper, 3)(&wrapper, read)));
    EXPECT_EQ(text, "new");
}

TEST(SlotOrder, MenuItemAndItsContainerStandInTheSameSlots) {
    std::vector<TSMenuItem> items(2);
    items[1].setID(5);
    FakeBranch one;
    EXPECT_TRUE((operation<bool(void*, TCTreeBranch&)>(&items[1], 2)(&items[1], one)));
    EXPECT_EQ(FakeTree::describe(one), "{0={0=value 00000000}, 1=value 00, 2=value 05000000}");
    FakeBranch other;
    other.becomeItem("n", true, 6);
    EXPECT_TRUE((operation<bool(void*, TCTreeBranch&)>(&items[1], 3)(&items[1], other)));
    EXPECT_EQ(items[1].getID(), 6u);

    TCMarshalableOneDimensionContainer<std::vector<TSMenuItem>, TSMenuItem> wrapper(
        &items, new TCMarshalableNodeCreator, false);
    EXPECT_EQ((operation<int(void*)>(&wrapper, 4)(&wrapper)), 1);
    FakeBranch none;
    EXPECT_TRUE((operation<bool(void*, TCTreeBranch&)>(&wrapper, 3)(&wrapper, none)));
    EXPECT_TRUE(items.empty());
}

TEST(SlotOrder, TreeFormatter) {
    std::string note;
    TCTreeFormatter* formatter = new NotingFormatter(note);
    operation<bool(void*, short, int, void*)>(formatter, 1)(formatter, 0, 0, nullptr);
    EXPECT_EQ(note, "PushValue");
    operation<bool(void*, short, int, int, void*)>(formatter, 2)(formatter, 0, 0, 0, nullptr);
    EXPECT_EQ(note, "PushArray");
    operation<bool(void*, short, int, void*, void*)>(formatter, 3)(formatter, 0, 0, nullptr,
                                                                   nullptr);
    EXPECT_EQ(note, "PushLengthArray");
    operation<bool(void*, short, void*)>(formatter, 4)(formatter, 0, nullptr);
    EXPECT_EQ(note, "PushMarshalableClass");
    operation<bool(void*)>(formatter, 5)(formatter);
    EXPECT_EQ(note, "Extract");
    operation<bool(void*)>(formatter, 6)(formatter);
    EXPECT_EQ(note, "FillOut");
    destroyThroughSlot(formatter);
    EXPECT_EQ(note, "destructor");
}

#endif
