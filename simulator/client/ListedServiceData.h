#pragma once

#include <new>

#include <norvex/client/ServiceData.h>

class TCTreeBranch;

// A record of a list, in one piece of memory with its fields: lists of a million records are asked
// for.
class ListedServiceData final : public TCServiceData {
public:
    // Null when the branch is no record's.
    static TCServiceData* Make(TCTreeBranch& branch);
    ~ListedServiceData() override;

    bool TreeToClass(TCTreeBranch& branch) override;

    // The fields behind it go with it.
    // NOLINTNEXTLINE(cert-dcl54-cpp): the one operator new is private and takes the place.
    static void operator delete(void* memory) { ::operator delete(memory); }

private:
    ListedServiceData() = default;

    static void* operator new(std::size_t, void* memory) { return memory; }
    static void operator delete(void*, void*) {}
    void* GetBlock() { return this + 1; }
};
