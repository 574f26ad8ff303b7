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
#include "MarshalableOneDimensionContainer.h"
#include "MarshalableString.h"
#include "TestItems.h"
#include "Timeline.h"
#include "Tree.h"

#if defined(__x86_64__) || defined(__aarch64__)

namespace {

constexpr int kDeletingDestructor = 1;
constexpr int kFirstOperation = 2;

// The n-th operation after the destructor.
template <typename Function> Function* Operation(const void* object, int number) {
    void* const* table = *static_cast<void* const* const*>(object);
    return reinterpret_cast<Function*>(table[number + kFirstOperation - 1]);
}

void DestroyThroughSlot(void* object) {
    void* const* table = *static_cast<void* const* const*>(object);
    reinterpret_cast<void (*)(void*)>(table[kDeletingDestructor])(object);
}

// The method of the one call made since the last question.
std::string CalledMethod() {
    const std::vector<std::string> calls = Timeline::Now().Calls();
    Timeline::Now().Clear();
    if (calls.size() != 1)
        return std::to_string(calls.size()) + " calls";
    const std::size_t begin = calls[0].find(", ") + 2;
    return calls[0].substr(begin, calls[0].find(',', begin) - begin);
}

bool Note(const char* operation) {
    Timeline::Now().Call(std::string("reached, ") + operation + ",");
    return true;
}

// Note which operation was reached.
class NotingMarshalable : public TCMarshalable {
public:
    ~NotingMarshalable() override { Note("destructor"); }
    bool GetSizeOfMarshalled(unsigned long&) override { return Note("GetSizeOfMarshalled"); }
    bool ClassToTree(TCTreeBranch&) override { return Note("ClassToTree"); }
    bool TreeToClass(TCTreeBranch&) override { return Note("TreeToClass"); }
    int GetMarshalableStorageType() override { return Note("GetMarshalableStorageType"); }
    bool Store(TCMessageBuffer*) override { return Note("Store"); }
    bool Load(TCMessageBuffer*) override { return Note("Load"); }
};

class NotingFormatter : public TCTreeFormatter {
public:
    ~NotingFormatter() override { Note("destructor"); }
    bool PushValue(short, int, void*) override { return Note("PushValue"); }
    bool PushArray(short, int, int, void*) override { return Note("PushArray"); }
    bool PushLengthArray(short, int, void*, TILengthInfoContainer*) override { return Note("PushLengthArray"); }
    bool PushMarshalableClass(short, TIMarshalable*) override { return Note("PushMarshalableClass"); }
    bool Extract() override { return Note("Extract"); }
    bool FillOut() override { return Note("FillOut"); }
};

} // namespace

TEST(SlotOrder, DebugPrintControl) {
    IDebugPrintControl* control = new TCDebugPrintControlProxy("com.example.IControl");
    Timeline::Now().Clear();
    std::string screen;
    const std::string command = "c";
    int value = 0;
    const std::vector<TSMenuItem> items;
    const TSMenuItem item;

    Operation<int(void*, std::string&)>(control, 1)(control, screen);
    EXPECT_EQ(CalledMethod(), "Start");
    Operation<int(void*, const std::string&, std::string&)>(control, 2)(control, command, screen);
    EXPECT_EQ(CalledMethod(), "Execute");
    Operation<int(void*, int&)>(control, 3)(control, value);
    EXPECT_EQ(CalledMethod(), "Check");
#if defined(__x86_64__)
    // The result's place goes before the object, as a first argument.
    Operation<std::vector<TSMenuItem>(void*)>(control, 4)(control);
    EXPECT_EQ(CalledMethod(), "GetMenuItems");
#endif
    Operation<bool(void*, const std::vector<TSMenuItem>&)>(control, 5)(control, items);
    EXPECT_EQ(CalledMethod(), "SetMenuItems");
    Operation<bool(void*, const TSMenuItem&)>(control, 6)(control, item);
    EXPECT_EQ(CalledMethod(), "SetMenuItem");
    Operation<bool(void*, bool)>(control, 7)(control, true);
    EXPECT_EQ(CalledMethod(), "SetQoSEnabled");
    Operation<bool(void*)>(control, 8)(control);
    EXPECT_EQ(CalledMethod(), "IsQoSEnabled");
    Operation<bool(void*, EDebugMode, bool)>(control, 9)(control, EDebugMode(1), true);
    EXPECT_EQ(CalledMethod(), "SetDebugMode");
    Operation<bool(void*, EDebugMode)>(control, 10)(control, EDebugMode(1));
    EXPECT_EQ(CalledMethod(), "IsDebugModeEnabled");
    Operation<int(void*)>(control, 11)(control);
    EXPECT_EQ(CalledMethod(), "Stop");

    DestroyThroughSlot(control);
    EXPECT_EQ(Timeline::Now().Calls(), std::vector<std::string>{"~NorvexAPIConnection"});
    EXPECT_EQ(FakeConnection::CountAlive(), 0);
}

TEST(SlotOrder, Marshalable) {
    TIMarshalable* object = new NotingMarshalable;
    Timeline::Now().Clear();
    unsigned long size = 0;
    Operation<bool(void*, unsigned long&)>(object, 1)(object, size);
    EXPECT_EQ(CalledMethod(), "GetSizeOfMarshalled");
    Operation<bool(void*, TCTreeBranch*)>(object, 2)(object, nullptr);
    EXPECT_EQ(CalledMethod(), "ClassToTree");
    Operation<bool(void*, TCTreeBranch*)>(object, 3)(object, nullptr);
    EXPECT_EQ(CalledMethod(), "TreeToClass");
    Operation<int(void*)>(object, 4)(object);
    EXPECT_EQ(CalledMethod(), "GetMarshalableStorageType");
    Operation<bool(void*, TCMessageBuffer*)>(object, 5)(object, nullptr);
    EXPECT_EQ(CalledMethod(), "Store");
    Operation<bool(void*, TCMessageBuffer*)>(object, 6)(object, nullptr);
    EXPECT_EQ(CalledMethod(), "Load");
    DestroyThroughSlot(object);
    EXPECT_EQ(CalledMethod(), "destructor");
}

// The plug-in's own classes, written and read through the slots.
TEST(SlotOrder, MarshalableClassesOfThePlugIn) {
    std::string text = "new";
    TCMarshalableString string(&text);
    TSMenuItem item = MakeItem("n", true, 6);
    std::vector<TSMenuItem> items{item};
    TCMarshalableOneDimensionContainer<std::vector<TSMenuItem>, TSMenuItem> container(
        &items, new TCMarshalableNodeCreator, false);
    unsigned long size = 0;
    EXPECT_TRUE((Operation<bool(void*, unsigned long&)>(&string, 1)(&string, size)));
    EXPECT_EQ(size, 3u);
    EXPECT_EQ((Operation<int(void*)>(&container, 4)(&container)), 1);

    using Convert = bool(void*, TCTreeBranch&);
    const std::pair<TIMarshalable*, Tree> objects[] = {{&string, Tree::OfText("old")},
                                                       {&item, Tree::OfItem("m", false, 5)},
                                                       {&container, Tree().Branch(0, Tree::OfItem("c", false, 4))}};
    for (const auto& [object, tree] : objects) {
        EXPECT_TRUE(
            ReadFrom([object](TCTreeBranch& branch) { return Operation<Convert>(object, 3)(object, branch); }, tree));
    }
    EXPECT_EQ(text + ", " + ToText(item) + ", " + ToText(items), "old, m off 5, c off 4");

    struct Writer : TCMarshalable {
        bool ClassToTree(TCTreeBranch& branch) override { return Operation<Convert>(object, 2)(object, branch); }
        TIMarshalable* object = nullptr;
    } writer;
    for (const auto& [object, tree] : objects) {
        writer.object = object;
        EXPECT_EQ(Written(writer), "{" + Describe(tree.GetBytes().data(), tree.GetBytes().size()) + "}");
    }
}

TEST(SlotOrder, TreeFormatter) {
    TCTreeFormatter* formatter = new NotingFormatter;
    Timeline::Now().Clear();
    Operation<bool(void*, short, int, void*)>(formatter, 1)(formatter, 0, 0, nullptr);
    EXPECT_EQ(CalledMethod(), "PushValue");
    Operation<bool(void*, short, int, int, void*)>(formatter, 2)(formatter, 0, 0, 0, nullptr);
    EXPECT_EQ(CalledMethod(), "PushArray");
    Operation<bool(void*, short, int, void*, void*)>(formatter, 3)(formatter, 0, 0, nullptr, nullptr);
    EXPECT_EQ(CalledMethod(), "PushLengthArray");
    Operation<bool(void*, short, void*)>(formatter, 4)(formatter, 0, nullptr);
    EXPECT_EQ(CalledMethod(), "PushMarshalableClass");
    Operation<bool(void*)>(formatter, 5)(formatter);
    EXPECT_EQ(CalledMethod(), "Extract");
    Operation<bool(void*)>(formatter, 6)(formatter);
    EXPECT_EQ(CalledMethod(), "FillOut");
    DestroyThroughSlot(formatter);
    EXPECT_EQ(CalledMethod(), "destructor");
}

#endif
