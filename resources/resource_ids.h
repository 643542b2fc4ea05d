// Numbers of the resources built into Tavro.exe, read by tavro.rc and by the
// code that loads them.
#pragma once

#define IDI_TAVRO 101               // the program icon
#define IDR_ACCELERATORS 103        // the keys of the command table
#define IDW_TYPEWRITER_KEY 333      // wave: a key strike
#define IDW_TYPEWRITER_RETURN 334   // wave: the carriage return

// The AI Settings dialog and its controls.
#define IDD_AI_SETTINGS 8100
#define IDC_AI_PROVIDER 8101
#define IDC_AI_KEY 8102
#define IDC_AI_MODEL 8103
#define IDC_AI_TEMPERATURE 8105
#define IDC_AI_TEMPERATURE_TEXT 8106
#define IDC_AI_MAX_TOKENS 8107
#define IDC_AI_KEEP_HISTORY 8109
#define IDC_AI_HISTORY_LIMIT 8110
#define IDC_AI_TEST 8111
#define IDC_AI_RESET 8112
#define IDC_AI_RESULT 8113
#define IDC_AI_CHAT_COUNT 8123
#define IDC_AI_PANEL_SIZE 8124
#define IDC_AI_ACCOUNT 8126
#define IDC_AI_TEMPERATURE_NOTE 8150
#define IDC_AI_TYPING_DELAY 8400
#define IDC_AI_TYPING_DELAY_TEXT 8401
#define IDC_AI_TYPING_DELAY_NOTE 8411
#define IDC_AI_TYPING 8420

// The profile manager; Close is IDCANCEL, so Esc closes it too.
#define IDD_PROFILES 10000
#define IDC_PROFILE_LIST 10001
#define IDC_PROFILE_NEW 10002
#define IDC_PROFILE_RENAME 10003
#define IDC_PROFILE_DELETE 10004
#define IDC_PROFILE_ACTIVATE 10005
#define IDC_PROFILE_STATUS 10006

// The Find and Replace dialog and its controls.
#define IDD_FIND 500
#define IDC_FIND_WHAT 501
#define IDC_FIND_REPLACE_WITH 502
#define IDC_FIND_MATCH_CASE 503
#define IDC_FIND_WHOLE_WORD 504
#define IDC_FIND_WRAP 505
#define IDC_FIND_PRESERVE_CASE 506
#define IDC_FIND_IN_SELECTION 507
#define IDC_FIND_COLOR_RESULTS 508
#define IDC_FIND_NEXT 510
#define IDC_FIND_PREV 511
#define IDC_FIND_REPLACE 512
#define IDC_FIND_REPLACE_ALL 513
#define IDC_FIND_HIGHLIGHT_ALL 514
#define IDC_FIND_CLOSE 515
#define IDC_FIND_STATUS 516
#define IDC_FIND_OPTIONS 517
#define IDC_FIND_WHAT_LABEL 518
#define IDC_FIND_REPLACE_LABEL 519
#define IDC_FIND_STATUS_LABEL 520

// The Regex Search dialog and its controls.
#define IDD_REGEX 800
#define IDC_REGEX_PATTERN 801
#define IDC_REGEX_REPLACEMENT 802
#define IDC_REGEX_MATCH_CASE 803
#define IDC_REGEX_WHOLE_WORD 804
#define IDC_REGEX_PRESERVE_CASE 805
#define IDC_REGEX_BATCH_SIZE 806
#define IDC_REGEX_MAX_MATCHES 807
#define IDC_REGEX_LINE_NUMBERS 808
#define IDC_REGEX_OUTPUT_FORMAT 809
#define IDC_REGEX_FIND_NEXT 810
#define IDC_REGEX_REPLACE 811
#define IDC_REGEX_REPLACE_ALL 812
#define IDC_REGEX_CANCEL 813
#define IDC_REGEX_OPEN_RESULTS 814
#define IDC_REGEX_CLOSE 815
#define IDC_REGEX_STATUS 816
#define IDC_REGEX_PATTERN_LABEL 819
#define IDC_REGEX_REPLACEMENT_LABEL 820
#define IDC_REGEX_OPTIONS 821
#define IDC_REGEX_BATCH_LABEL 822
#define IDC_REGEX_MAX_LABEL 823
#define IDC_REGEX_FORMAT_LABEL 824
#define IDC_REGEX_RESULTS 825
#define IDC_REGEX_COLOR_RESULTS 826
#define IDC_REGEX_PROGRESS 827
#define IDC_REGEX_APPLY 828
#define IDC_REGEX_FIND_ALL 829
#define IDC_REGEX_FIND_PREV 830

// The progress dialog of every long export; it paints its own Cancel and hides this one.
#define IDD_EXPORT_PROGRESS 9100

// The Export dialog: the format list and its description; Export is IDOK.
#define IDD_EXPORT 9200
#define IDC_EXPORT_FORMAT 9201
#define IDC_EXPORT_DESCRIPTION 9202
