#pragma once

#include <norvex/core/Export.h>
#include <norvex/core/TreeFormatter.h>

// Reads: each push looks up the child with its tag and stores its content at once, so that a length
// is known before its array is pushed. A missing child leaves the memory unchanged and is not an
// error; a child of another size or kind leaves it unchanged and is one.
class NORVEX_API TCTreeToClassFormatter : public TCTreeFormatter {
public:
    // `branch` must outlive the formatter.
    explicit TCTreeToClassFormatter(TCTreeBranch& branch);
    ~TCTreeToClassFormatter() override;

    bool PushValue(short tag, int size, void* data) override;
    bool PushArray(short tag, int count, int elementSize, void* data) override;
    bool PushLengthArray(short tag, int count, void* data, TILengthInfoContainer* info) override;
    bool PushMarshalableClass(short tag, TIMarshalable* object) override;
    bool FillOut() override;

private:
    void* m_pState;
};
