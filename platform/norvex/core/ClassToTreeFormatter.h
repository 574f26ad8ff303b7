#pragma once

#include <norvex/core/Export.h>
#include <norvex/core/TreeFormatter.h>

// Writes: each push adds a child to the branch.
class NORVEX_API TCClassToTreeFormatter : public TCTreeFormatter {
public:
    // `branch` must outlive the formatter.
    explicit TCClassToTreeFormatter(TCTreeBranch& branch);
    ~TCClassToTreeFormatter() override;

    bool PushValue(short tag, int size, void* data) override;
    bool PushArray(short tag, int count, int elementSize, void* data) override;
    bool PushLengthArray(short tag, int count, void* data, TILengthInfoContainer* info) override;
    bool PushMarshalableClass(short tag, TIMarshalable* object) override;
    bool Extract() override;

private:
    void* m_pState;
};
