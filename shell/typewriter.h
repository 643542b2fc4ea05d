// Which typewriter clip a typed character plays.
#pragma once
