#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <norvex/core/Marshalable.h>
#include <norvex/core/NodeCreator.h>
#include <norvex/core/TreeBranch.h>

// Marshalable classes that the marshalling library does not know.

// A text around the caller's string, as the console wraps its own.
class TestText : public TCMarshalable {
public:
    explicit TestText(std::string& text) : m_text(&text) {}

    bool GetSizeOfMarshalled(unsigned long& size) override;
    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;

private:
    std::string* m_text;
};

// Plain values of each size.
struct Numbers : TCMarshalable {
    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;
    bool operator==(const Numbers& other) const;
    static Numbers Random(std::mt19937& random);

    std::uint8_t byte = 0;
    std::int16_t small = 0;
    std::int32_t number = 0;
    std::uint64_t wide = 0;
    double fraction = 0;
};

// A text, an array of a fixed length, an object within.
struct Mixed : TCMarshalable {
    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;
    bool operator==(const Mixed& other) const;
    static Mixed Random(std::mt19937& random);

    std::string name;
    std::uint16_t samples[5] = {};
    Numbers inner;
};

// Like the console's container wrapper: one node per element.
template <class Element> class TestVector : public TCMarshalable {
public:
    explicit TestVector(std::vector<Element>& elements) : m_elements(elements) {}

    bool ClassToTree(TCTreeBranch& branch) override {
        for (Element& element : m_elements) {
            if (TCTreeNode* node = m_creator.CreateNode(&element, sizeof element, -1, 1))
                branch.AppendChild(node);
        }
        return true;
    }
    bool TreeToClass(TCTreeBranch& branch) override {
        m_elements.clear();
        for (TCTreeNode* node = branch.GetFirstChild(); node != nullptr; node = branch.GetNextChild()) {
            Element element;
            m_creator.FillElement(&element, sizeof element, sizeof element, node);
            m_elements.push_back(element);
        }
        return true;
    }
    int GetMarshalableStorageType() override { return 1; }

private:
    std::vector<Element>& m_elements;
    TCMarshalableNodeCreator m_creator;
};

// A vector within an object within a vector.
struct Group : TCMarshalable {
    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;
    bool operator==(const Group& other) const;
    static Group Random(std::mt19937& random);

    std::string title;
    std::vector<Mixed> members;
};

std::string RandomText(std::mt19937& random, std::size_t longest);
