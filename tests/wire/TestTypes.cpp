#include "TestTypes.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>

#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/TreeToClassFormatter.h>

namespace {

template <class T> T RandomValue(std::mt19937& random) {
    T value;
    unsigned char bytes[sizeof(T)];
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random());
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

// The fields, for both directions.
void PushFields(Numbers& numbers, TCTreeFormatter& formatter) {
    formatter.PushValue(0, sizeof numbers.byte, &numbers.byte);
    formatter.PushValue(1, sizeof numbers.small, &numbers.small);
    formatter.PushValue(2, sizeof numbers.number, &numbers.number);
    formatter.PushValue(3, sizeof numbers.wide, &numbers.wide);
    formatter.PushValue(4, sizeof numbers.fraction, &numbers.fraction);
}

// Tags out of their order, on purpose.
void PushFields(Mixed& mixed, TCTreeFormatter& formatter) {
    TestText name(mixed.name);
    formatter.PushMarshalableClass(7, &mixed.inner);
    formatter.PushMarshalableClass(2, &name);
    formatter.PushArray(5, 5, sizeof mixed.samples[0], mixed.samples);
}

void PushFields(Group& group, TCTreeFormatter& formatter) {
    TestText title(group.title);
    TestVector<Mixed> members(group.members);
    formatter.PushMarshalableClass(0, &title);
    formatter.PushMarshalableClass(1, &members);
}

template <class T> bool Write(T& object, TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    PushFields(object, formatter);
    return formatter.Extract();
}

template <class T> bool Read(T& object, TCTreeBranch& branch) {
    TCTreeToClassFormatter formatter(branch);
    PushFields(object, formatter);
    return formatter.FillOut();
}

} // namespace

bool TestText::GetSizeOfMarshalled(unsigned long& size) {
    size = m_text->size();
    return true;
}

bool TestText::ClassToTree(TCTreeBranch& branch) {
    TCClassToTreeFormatter formatter(branch);
    int length = static_cast<int>(m_text->size());
    formatter.PushValue(0, sizeof length, &length);
    if (length != 0)
        formatter.PushLengthArray(1, length, m_text->data(), nullptr);
    return formatter.Extract();
}

// Allocates the memory before it sees the bytes, and ignores all results.
bool TestText::TreeToClass(TCTreeBranch& branch) {
    TCTreeToClassFormatter formatter(branch);
    int length = 0;
    formatter.PushValue(0, sizeof length, &length);
    if (length != 0) {
        const auto size = static_cast<std::size_t>(length);
        const auto bytes = std::make_unique<char[]>(size + 1);
        formatter.PushLengthArray(1, length, bytes.get(), nullptr);
        m_text->assign(bytes.get(), size);
    }
    return formatter.FillOut();
}

bool Numbers::ClassToTree(TCTreeBranch& branch) {
    return Write(*this, branch);
}

bool Numbers::TreeToClass(TCTreeBranch& branch) {
    return Read(*this, branch);
}

// The fraction by its bits: one that is no number is itself, too.
bool Numbers::operator==(const Numbers& other) const {
    return byte == other.byte && small == other.small && number == other.number && wide == other.wide &&
           std::bit_cast<std::uint64_t>(fraction) == std::bit_cast<std::uint64_t>(other.fraction);
}

Numbers Numbers::Random(std::mt19937& random) {
    Numbers numbers;
    numbers.byte = RandomValue<std::uint8_t>(random);
    numbers.small = RandomValue<std::int16_t>(random);
    numbers.number = RandomValue<std::int32_t>(random);
    numbers.wide = RandomValue<std::uint64_t>(random);
    numbers.fraction = RandomValue<double>(random);
    return numbers;
}

bool Mixed::ClassToTree(TCTreeBranch& branch) {
    return Write(*this, branch);
}

bool Mixed::TreeToClass(TCTreeBranch& branch) {
    return Read(*this, branch);
}

bool Mixed::operator==(const Mixed& other) const {
    return name == other.name && std::equal(std::begin(samples), std::end(samples), other.samples) &&
           inner == other.inner;
}

Mixed Mixed::Random(std::mt19937& random) {
    Mixed mixed;
    mixed.name = RandomText(random, 40);
    for (std::uint16_t& sample : mixed.samples)
        sample = RandomValue<std::uint16_t>(random);
    mixed.inner = Numbers::Random(random);
    return mixed;
}

bool Group::ClassToTree(TCTreeBranch& branch) {
    return Write(*this, branch);
}

bool Group::TreeToClass(TCTreeBranch& branch) {
    return Read(*this, branch);
}

bool Group::operator==(const Group& other) const {
    return title == other.title && members == other.members;
}

Group Group::Random(std::mt19937& random) {
    Group group;
    group.title = RandomText(random, 200);
    for (std::size_t count = random() % 5; count > 0; --count)
        group.members.push_back(Mixed::Random(random));
    return group;
}

std::string RandomText(std::mt19937& random, std::size_t longest) {
    std::string text(random() % (longest + 1), '\0');
    for (char& character : text)
        character = static_cast<char>(random());
    return text;
}
