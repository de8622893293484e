// The list of a combo box, opened over its form: arrows and typing move in it, Enter picks.
#pragma once

#include "form_view.h"

namespace terminal {

// The first entry at or behind `from`, around the end, that begins with `text`; -1 for none. Letters match
// without regard to case.
automation::Long Find_Entry(const toolkit::List_Control& list, String_View text, automation::Long from);

// The index an arrow or page key leads to, `page` entries being seen; nothing for other keys.
std::optional<automation::Long> Moved_Index(const Key& key, automation::Long index, automation::Long count,
                                            int page);

// The entry that was picked. `typed` is looked for at once.
std::optional<automation::Long> Pick_From_List(Screen& screen, const Form_View& form,
                                               const toolkit::List_Control& list, const String& typed);

} // namespace terminal
