#define Config_File nrf52840_board.xml
#define TIMER0_MODE 1
