#include "tests/contract/LayoutPrinter.h"

namespace kv::test {

namespace {

constexpr std::size_t kDestructorSlots = 2;

std::string slotRange(std::size_t first, std::size_t end) {
    std::string text = std::to_string(first);
    if (end - first > 1) {
        text += '-';
        text += std::to_string(end - 1);
    }
    return text;
}

}  // namespace

void LayoutPrinter::fail(std::string_view type, const std::string& problem) {
    m_errors.push_back(std::string(type) + ": " + problem);
}

void LayoutPrinter::printRecord(std::string_view name, std::size_t size, std::size_t align,
                                std::size_t fieldCount, const std::vector<FieldLayout>& fields) {
    m_out << "\nrecord " << name << " size " << size << " align " << align << "\n";
    if (fields.size() != fieldCount) {
        fail(name, "has " + std::to_string(fieldCount) + " fields, the list names " +
                       std::to_string(fields.size()));
    }
    std::size_t end = 0;
    for (const FieldLayout& field : fields) {
        if (field.offset < end) {
            fail(name, field.name +
                           " lies before the end of the field listed before it: list "
                           "the fields in declaration order");
        }
        m_out << "  offset " << field.offset << " size " << field.size << " " << field.kind << " "
              << field.name << "\n";
        end = field.offset + field.size;
    }
}

void LayoutPrinter::printInterface(std::string_view name, std::string_view baseName,
                                   std::size_t size, std::size_t first, std::size_t end,
                                   const std::vector<OperationSlot>& operations) {
    m_out << "\ninterface " << name;
    if (!baseName.empty()) {
        m_out << " : " << baseName;
    }
    m_out << " size " << size << " slots " << end << "\n";
    std::size_t next = first;
    for (std::size_t i = 0; i < operations.size(); ++i) {
        const OperationSlot& operation = operations[i];
        if (operation.destructor) {
            // A virtual destructor has two entries, the complete-object and the deleting
            // destructor, in the slots after the operation listed before it.
            const std::size_t following =
                i + 1 < operations.size() ? operations[i + 1].slot.value_or(end) : end;
            if (following == next) {
                fail(name, operation.name + " takes no slot: it is not virtual");
                continue;
            }
            m_out << "  slot " << slotRange(next, next + kDestructorSlots) << " " << operation.name
                  << "\n";
            next += kDestructorSlots;
            continue;
        }
        if (!operation.slot) {
            fail(name, operation.name + " is not a virtual operation of the interface");
            continue;
        }
        if (*operation.slot != next) {
            fail(name, operation.name + " is in slot " + std::to_string(*operation.slot) +
                           ", the list expects slot " + std::to_string(next) +
                           ": an operation is missing from the list or listed out of order");
        }
        m_out << "  slot " << *operation.slot << " " << operation.name << "\n";
        next = *operation.slot + 1;
    }
    if (next < end) {
        fail(name, (end - next > 1 ? "slots " : "slot ") + slotRange(next, end) + " not listed");
    } else if (next > end) {
        fail(name, "the list names more slots than the interface has");
    }
}

}  // namespace kv::test
