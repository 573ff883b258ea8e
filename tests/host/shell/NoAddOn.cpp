// A library without the entry point of an add-on.
extern "C" __attribute__((visibility("default"))) int AnswerOfNoAddOn();

int AnswerOfNoAddOn() { return 42; }
