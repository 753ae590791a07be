#pragma once

// Where a paste, a mix or an inserted silence goes.
enum class PastePlace { Start, CurrentPosition, StartOfSelection, EndOfSelection, End };
enum class SilencePlace { Start, End, CurrentPosition };
