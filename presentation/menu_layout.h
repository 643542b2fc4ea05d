// Sizes of owner-drawn menu items, without a window.
#pragma once
