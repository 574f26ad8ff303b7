#pragma once

#include <norvex/core/Export.h>
#include <norvex/core/TreeFormatter.h>

// Reads: each push looks the child with its tag up and puts its content in place at once, so that a
// length is known before the array that it measures is pushed. A missing child leaves the memory as
// it was and is no failure; one of another size or kind leaves it too and is.
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
