/* What a static program costs before it does anything. */
int main(void) { return 0; }
