#include "presentation/message_box_layout.h"
