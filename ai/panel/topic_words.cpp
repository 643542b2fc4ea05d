// The topic words of the disclaimer: a message that contains one of these
// rows, anywhere and as a plain substring, gets "AI can make mistakes..."
// behind its answer. The subjects are those where a wrong answer does harm:
// health, law, money, hazards, mental health and diet. English comes first,
// then the same topics in Bosnian, Croatian and Serbian (Latin script), each
// language in that order of topics. Rows are lower case as the scan compares
// them with a message whose ASCII letters alone were lowered, so a capital
// letter outside ASCII never matches. Substring hits are meant, false ones
// included ("tax" in syntax, "bol" in symbol); a few words are the same in
// two of the languages and keep both rows.
#include "ai/panel/topic_words.h"

const wchar_t* const kTopicWords[kTopicWordCount] = {
    // English: health
    L"doctor", L"physician", L"symptom", L"diagnosis", L"disease", L"illness", L"infection", L"medicine",
    L"medication", L"prescription", L"dosage", L"overdose", L"side effect", L"vaccine", L"pregnancy", L"pregnant",
    L"cancer", L"tumor", L"diabetes", L"blood pressure", L"heart attack", L"surgery", L"antibiotic", L"allergy",
    L"fever", L"painkiller", L"chest pain", L"headache", L"injury", L"hospital", L"pharmacy", L"ibuprofen",
    L"paracetamol",
    // English: law
    L"lawyer", L"attorney", L"lawsuit", L"legal", L"court", L"judge", L"custody", L"divorce", L"criminal",
    L"arrest", L"police", L"immigration", L"visa application", L"copyright", L"liability", L"tenant", L"landlord",
    L"eviction", L"penalty",
    // English: money
    L"tax", L"invest", L"mortgage", L"loan", L"debt", L"credit card", L"interest rate", L"retirement", L"pension",
    L"insurance", L"bank account", L"savings", L"budget", L"salary", L"income", L"inflation", L"is it worth",
    L"should i buy", L"financial", L"stocks", L"cryptocurrency", L"bitcoin", L"bankrupt",
    // English: hazards
    L"danger", L"toxic", L"poison", L"explosive", L"gas leak", L"carbon monoxide", L"electric shock",
    L"high voltage", L"fire hazard", L"weapon", L"firearm", L"chemical", L"bleach", L"radiation", L"asbestos",
    L"flammable", L"hazard", L"unsafe", L"is it safe",
    // English: mental health
    L"depression", L"depressed", L"anxiety", L"panic attack", L"suicide", L"suicidal", L"self-harm",
    L"kill myself", L"therapy", L"therapist", L"psychiatrist", L"mental health", L"trauma", L"ptsd", L"bipolar",
    L"schizophrenia", L"eating disorder", L"addiction", L"insomnia", L"burnout", L"stressed",
    // English: diet
    L"diet", L"calorie", L"weight loss", L"lose weight", L"fasting", L"keto", L"vegan", L"protein", L"supplement",
    L"vitamin", L"nutrition", L"sugar", L"cholesterol", L"gluten", L"alcohol",
    // Bosnian
    L"zdravlje", L"ljekar", L"doktor", L"lijek", L"bolest", L"bol", L"simptom", L"trudnoća", L"tablete",
    L"advokat", L"sudija", L"zakon", L"tužba", L"ugovor", L"policija", L"nasljedstvo", L"novac", L"porez",
    L"kredit", L"štednja", L"plata", L"banka", L"ulaganje", L"penzija", L"opasno", L"otrov", L"eksploziv",
    L"struja", L"požar", L"depresija", L"anksioznost", L"samoubistvo", L"stres", L"psiholog", L"dijeta",
    L"kalorije", L"šećer", L"ishrana",
    // Croatian
    L"liječnik", L"zdravstvo", L"ozljeda", L"cjepivo", L"upala", L"operacija", L"ljekarna", L"odvjetnik", L"sudac",
    L"presuda", L"kazna", L"zakon", L"oporuka", L"razvod", L"porez", L"dionice", L"mirovina", L"zajam", L"dug",
    L"plaća", L"opasnost", L"otrovno", L"zapaljivo", L"eksplozija", L"curenje plina", L"tjeskoba", L"samoubojstvo",
    L"psihijatar", L"ovisnost", L"depresija", L"prehrana", L"mršavljenje", L"vitamini", L"bjelančevine",
    // Serbian
    L"lekar", L"lek", L"bolnica", L"zdravlje", L"vakcina", L"povreda", L"apoteka", L"advokat", L"sudski",
    L"krivično", L"ostavina", L"razvod braka", L"novčanik", L"akcije", L"štedni", L"hipoteka", L"osiguranje",
    L"zarada", L"opasan", L"otrovan", L"zračenje", L"strujni udar", L"vatra", L"anksiozan", L"nesanica",
    L"zavisnost", L"psihoterapija", L"samopovređivanje", L"ishrana", L"gojaznost", L"mršavljenja", L"holesterol",
};
