// The command table: ids, menu labels and keys.
#pragma once
