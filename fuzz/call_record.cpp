#include "fuzz/call_record.hpp"

#include <array>

#include "tests/support/example_calls.hpp"

namespace finance::fuzz {

namespace {

constexpr std::array<std::string_view, 8> keywords{"30/360",   "ACTUAL",    "ACT/360",  "ACT/365",
                                                   "EU30/360", "act / 360", " actual ", "30/36O"};

// A name as people and programs get it wrong: other case, padding, a character too few, too many or another one.
std::string misspelt(std::string_view name, Bytes& in) {
    std::string text{name};
    const std::uint8_t how = in.byte();
    if ((how & 1) != 0) {
        for (char& c : text) c = static_cast<char>(c | 0x20);
    }
    if ((how & 2) != 0) text.append(in.byte(), ' ');
    if ((how & 0x1C) == 0x04) text.pop_back();
    if ((how & 0x1C) == 0x08) text += in.take<char>();
    if ((how & 0x1C) == 0x0C) text[in.byte() % text.size()] = in.take<char>();
    if ((how & 0x1C) == 0x10) text.insert(text.begin(), ' ');
    if ((how & 0x1C) == 0x14) text += '\0';
    if ((how & 0x1C) == 0x18) text.append(text);
    return text;
}

// As many arguments as a calculation takes, at its row.
const std::vector<std::vector<host::Argument>>& full_calls() {
    static const auto calls = [] {
        std::vector<std::vector<host::Argument>> made;
        for (const auto& calculation : catalogue::calculations()) made.push_back(test::full_call(calculation));
        return made;
    }();
    return calls;
}

std::string some_text(Bytes& in) {
    const std::size_t length = in.byte();
    constexpr std::size_t long_text = 250;
    if (length < long_text) return std::string{in.text(length)};
    return std::string(length + in.byte(), in.take<char>());  // around and beyond the longest keyword text
}

}  // namespace

void CallRecord::place_zones(std::uint8_t junk) {
    zones_.clear();
    const auto zone = [&](char* begin, std::size_t size) {
        std::memset(begin, junk, size);
        zones_.push_back({begin, size});
        return begin;
    };
    const std::size_t record = sizeof(HostCallContext) + size_ * sizeof(ArgSlot);
    context_ = reinterpret_cast<HostCallContext*>(zone(record_memory_.last(record), record));
    slots_ = reinterpret_cast<ArgSlot*>(context_ + 1);
    const std::size_t numbers = size_ * sizeof(double);
    numbers_ = reinterpret_cast<double*>(zone(number_memory_.last(numbers), numbers));
    const std::size_t descriptors = size_ * sizeof(CharacterDescriptor);
    descriptors_ = reinterpret_cast<CharacterDescriptor*>(zone(descriptor_memory_.last(descriptors), descriptors));
}

void CallRecord::fill(Bytes& in) {
    const std::size_t row = in.below(static_cast<std::uint32_t>(catalogue::calculations().size()));
    const catalogue::Calculation& wanted = catalogue::calculations()[row];
    const std::vector<host::Argument>& usual = full_calls()[row];
    const std::uint8_t shape = in.byte();
    const std::size_t least = minimum_count(wanted);
    const std::size_t most = list_count(wanted) > 0 ? least + 13 : maximum_count(wanted);
    const std::size_t fitting = least + shape % (most - least + 1);
    size_ = shape < 224 ? fitting : in.below(most_slots + 1);
    place_zones(in.byte());
    context_->mode = in.flag() ? static_cast<std::uint8_t>(72 + 16 * in.below(5)) : in.byte();
    context_->notes_written = in.flag() ? in.take<std::int8_t>() : in.take<std::int32_t>();
    previous_ = 0.0;
    name_.clear();
    characters_ = 0;
    if (size_ == 0) return;
    const std::uint8_t naming = in.byte();
    name_ = naming < 192 ? std::string{wanted.name} : naming < 232 ? misspelt(wanted.name, in) : some_text(in);
    put_name(in);
    for (std::size_t i = 1; i < size_; ++i) put_argument(in, i, usual[(i - 1) % usual.size()]);
}

// Slot 0 has any type: the name is read as characters whatever it says.
void CallRecord::put_name(Bytes& in) {
    const std::uint8_t how = in.byte();
    slots_[0].type = how < 128 ? std::uint8_t{ZELKOVAN_TYPE_CHARACTER} : in.byte();
    slots_[0].flags = static_cast<std::uint8_t>(in.byte() & ~ZELKOVAN_FLAG_INVALID);
    char* text = name_memory_.put(name_);
    characters_ += name_.size();
    zones_.push_back({text, name_.size()});
    constexpr std::uint8_t no_value = 255;
    constexpr std::uint8_t no_text = 254;
    const auto length = static_cast<std::uint32_t>(name_.size());
    slots_[0].value = how == no_value ? nullptr : put_descriptor(0, length, how == no_text ? nullptr : text);
    if (how >= no_text) name_.clear();
}

CharacterDescriptor* CallRecord::put_descriptor(std::size_t i, std::uint32_t length, char* text) {
    descriptors_[i].length = length;
    descriptors_[i].text = text;
    return &descriptors_[i];
}

void CallRecord::put_number(std::size_t i, double value) {
    numbers_[i] = value;
    previous_ = value;
    slots_[i].value = &numbers_[i];
}

void CallRecord::put_text(std::size_t i, std::string_view text) {
    char* place = text_memory_[i % text_zones].put(text);
    zones_.push_back({place, text.size()});
    characters_ += text.size();
    slots_[i].value = put_descriptor(i, static_cast<std::uint32_t>(text.size()), place);
}

// The usual one or one beside it, missing, or any.
double CallRecord::some_number(Bytes& in, int way, double usual) const {
    switch (way) {
        case 0:
        case 1:
            return usual;
        case 2:  // moved by days or units
            return usual + in.take<std::int8_t>();
        case 3:  // made up to four times as large, or turned round
            return usual * in.take<std::int8_t>() / 32.0;
        case 9:
            return some_nan(in);
        default:
            return number(in, previous_);
    }
}

// Of a type that is odd the value is at least a double, of any other a descriptor; both may be null.
void CallRecord::put_argument(Bytes& in, std::size_t i, const host::Argument& usual) {
    const std::uint8_t kind = in.byte();
    const int way = kind & 0xF;
    const bool usual_text = way < 2 && usual.kind() == host::Argument::Kind::text;
    ArgSlot& slot = slots_[i];
    slot.flags = static_cast<std::uint8_t>(kind & 0xF0);
    slot.type = usual_text || (way >= 11 && way <= 13)
                    ? static_cast<std::uint8_t>(ZELKOVAN_TYPE_CHARACTER | (kind >> 5 & ZELKOVAN_TYPE_HOST_MARK))
                    : static_cast<std::uint8_t>(ZELKOVAN_TYPE_NUMERIC | (kind & ZELKOVAN_TYPE_HOST_MARK));
    slot.value = nullptr;
    switch (way) {
        case 8:  // absent, of any type
            slot.type = in.byte();
            break;
        case 10:
            put_number(i, number(in, previous_));
            slot.type = static_cast<std::uint8_t>(in.byte() | ZELKOVAN_TYPE_NUMERIC);
            break;
        case 11:
            put_text(i, keywords[in.below(keywords.size())]);
            break;
        case 12:
            put_text(i, some_text(in));
            break;
        case 13:  // no text, of any length
            slot.value = put_descriptor(i, in.take<std::uint32_t>(), nullptr);
            break;
        case 14:
            put_text(i, some_text(in));
            slot.type = in.byte();
            break;
        default:
            if (usual_text) return put_text(i, usual.text());
            put_number(i, some_number(in, way, usual.number()));
    }
}

void CallRecord::claim(Bytes& in, const catalogue::Calculation* known) {
    constexpr std::int64_t wrap = std::int64_t{1} << 32;
    const auto slots = static_cast<std::int64_t>(size_);
    std::int64_t count = slots;
    switch (in.below(16)) {
        case 1:
            count = in.take<std::int8_t>();
            break;
        case 2:
            count = slots + wrap * in.take<std::int32_t>();
            break;
        case 3:
            count = 0;
            break;
        case 4:
            count = in.take<std::int64_t>();
            break;
        case 5:
            count = std::numeric_limits<std::int32_t>::max();
            break;
        case 6:
            count = std::numeric_limits<std::int32_t>::min() + wrap;
            break;
        case 7:
            count = slots + in.byte();
            break;
        default:
            break;
    }
    const auto read = static_cast<std::int32_t>(static_cast<std::uint32_t>(count));
    const bool refused_unseen =
        known == nullptr || (list_count(*known) == 0 && read > static_cast<std::int64_t>(maximum_count(*known)));
    const bool within = read < 1 || (slots > 0 && (read <= slots || refused_unseen));
    context_->count = within ? count : slots;
}

void CallRecord::read_bytes(std::string& all) const {
    all.clear();
    for (const Zone& zone : zones_) all.append(zone.begin, zone.size);
}

void CallRecord::restore(std::string_view bytes) const {
    for (const Zone& zone : zones_) {
        bytes.copy(zone.begin, zone.size);
        bytes.remove_prefix(zone.size);
    }
}

}  // namespace finance::fuzz
