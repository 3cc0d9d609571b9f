#include "support/Value.h"

#include <algorithm>

#include "support/KeyedHash.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr std::size_t smallSize = 16;  // up to here a walk is quicker than an index
constexpr auto nowhere = static_cast<std::size_t>(-1);

const Value& nullValue() {
    static const Value null;
    return null;
}

}  // namespace

Dictionary::Dictionary() = default;
Dictionary::Dictionary(const Dictionary&) = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(const Dictionary&) = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;
Dictionary::~Dictionary() = default;

Dictionary::Dictionary(std::initializer_list<Member> members) {
    for (const auto& member : members)
        set(member.key, member.value);
}

std::size_t Dictionary::position(std::string_view key) const {
    if (m_index.empty()) {
        const auto found =
            std::find_if(m_members.begin(), m_members.end(), [&](const Member& m) { return m.key == key; });
        return found == m_members.end() ? nowhere : static_cast<std::size_t>(found - m_members.begin());
    }
    const auto mask = m_index.size() - 1;
    for (auto slot = keyedHash(key) & mask; m_index[slot] != 0; slot = (slot + 1) & mask) {
        if (m_members[m_index[slot] - 1].key == key) return m_index[slot] - 1;
    }
    return nowhere;
}

void Dictionary::enterIntoIndex(std::size_t position) {
    const auto mask = m_index.size() - 1;
    auto slot = keyedHash(m_members[position].key) & mask;
    while (m_index[slot] != 0)
        slot = (slot + 1) & mask;
    m_index[slot] = static_cast<std::uint32_t>(position + 1);
}

void Dictionary::rebuildIndex(std::size_t slots) {
    m_index.assign(slots, 0);
    for (std::size_t i = 0; i < m_members.size(); ++i)
        enterIntoIndex(i);
}

const Value* Dictionary::find(std::string_view key) const {
    const auto place = position(key);
    return place == nowhere ? nullptr : &m_members[place].value;
}

Value* Dictionary::find(std::string_view key) {
    const auto place = position(key);
    return place == nowhere ? nullptr : &m_members[place].value;
}

const Value& Dictionary::operator[](std::string_view key) const {
    const auto* found = find(key);
    return found ? *found : nullValue();
}

void Dictionary::set(std::string key, Value value) {
    if (auto* found = find(key)) {
        *found = std::move(value);
        return;
    }
    m_members.push_back({std::move(key), std::move(value)});
    if (m_index.empty() && m_members.size() <= smallSize) return;
    if (m_members.size() * 2 > m_index.size()) {
        rebuildIndex(std::max(m_index.size() * 2, 4 * smallSize));
    } else {
        enterIntoIndex(m_members.size() - 1);
    }
}

bool Dictionary::remove(std::string_view key) {
    const auto place = position(key);
    if (place == nowhere) return false;
    m_members.erase(m_members.begin() + static_cast<std::ptrdiff_t>(place));
    if (!m_index.empty()) rebuildIndex(m_index.size());
    return true;
}

std::size_t Dictionary::size() const {
    return m_members.size();
}
std::vector<Dictionary::Member>::const_iterator Dictionary::begin() const {
    return m_members.begin();
}
std::vector<Dictionary::Member>::const_iterator Dictionary::end() const {
    return m_members.end();
}

bool operator==(const Dictionary& a, const Dictionary& b) {
    return a.size() == b.size() && std::all_of(a.begin(), a.end(), [&](const Dictionary::Member& member) {
               const auto* other = b.find(member.key);
               return other && *other == member.value;
           });
}

std::int32_t Value::intValue() const {
    if (const auto* n = number()) return n->intValue();
    if (const auto* t = text()) return torv::intValue(*t);
    return truth() && *truth() ? 1 : 0;
}

std::int64_t Value::longLongValue() const {
    if (const auto* n = number()) return n->longLongValue();
    if (const auto* t = text()) return torv::longLongValue(*t);
    return truth() && *truth() ? 1 : 0;
}

float Value::floatValue() const {
    if (const auto* n = number()) return n->floatValue();
    if (const auto* t = text()) return torv::floatValue(*t);
    return truth() && *truth() ? 1.0F : 0.0F;
}

double Value::doubleValue() const {
    if (const auto* n = number()) return n->doubleValue();
    if (const auto* t = text()) return torv::doubleValue(*t);
    return truth() && *truth() ? 1.0 : 0.0;
}

bool Value::boolValue() const {
    if (const auto* n = number()) return n->boolValue();
    if (const auto* t = text()) return torv::boolValue(*t);
    return truth() && *truth();
}

std::optional<std::string> Value::textValue() const {
    if (const auto* t = text()) return *t;
    if (const auto* n = number()) return n->stringValue();
    if (const auto* b = truth()) return *b ? "1" : "0";
    return std::nullopt;
}

const Value& Value::operator[](std::string_view key) const {
    const auto* members = dictionary();
    return members ? (*members)[key] : nullValue();
}

const Array& Value::elements() const {
    static const Array none;
    const auto* list = array();
    return list ? *list : none;
}

}  // namespace torv
