/*
 * A small bare-metal program whose only purpose is its symbol table: the
 * ELF reader's tests look these variables up and compare with nm.
 */
volatile unsigned int counter = 7;
volatile unsigned short speed = 1200;
volatile unsigned char mode = 3;
volatile float temperature = 21.5f;
volatile unsigned char samples[8] = {1, 2, 3, 4, 5, 6, 7, 8};
volatile unsigned int table[64];
static volatile unsigned int hidden_state = 5;

void _start(void)
{
    for (;;) {
        counter++;
        hidden_state += counter;
        table[counter & 63] = hidden_state;
    }
}
