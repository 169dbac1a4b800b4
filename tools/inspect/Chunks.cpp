#include "Chunks.hpp"

#include "InputError.hpp"

namespace vexa::inspect {

std::string_view Chunks::first() {
    std::string_view head = next();
    if (head.empty()) throw InputError("the file is empty; expected a header line", 1);
    if (head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF"))
        throw InputError("the text is UTF-16; expected UTF-8", 1);
    if (head.starts_with("\xEF\xBB\xBF")) head.remove_prefix(3);
    return head;
}

} // namespace vexa::inspect
