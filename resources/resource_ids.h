// Numbers of the resources built into Tavro.exe, read by tavro.rc and by the
// code that loads them.
#pragma once

#define IDI_TAVRO 101               // the program icon
#define IDR_ACCELERATORS 103        // the keys of the command table
#define IDW_TYPEWRITER_KEY 333      // wave: a key strike
#define IDW_TYPEWRITER_RETURN 334   // wave: the carriage return
