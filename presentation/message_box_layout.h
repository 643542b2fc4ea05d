// Sizes of the message box in dialog units, worked out without a window.
#pragma once
