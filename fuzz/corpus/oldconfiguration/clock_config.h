/* Configuration of the nRF52840 board */
#ifndef CLOCK_CONFIG_H
#define CLOCK_CONFIG_H
#define NVXQuillon_Version 2.5.0
#define Config_File nrf52840_board.xml
#define CLOCK_LFCLKSRC 0x00000002
#define CLOCK_HFXODEBOUNCE (0x40u)
#define P0_PIN_CNF13 0x00000003
#define P0_PIN_CNF11 0x0000000C
#define UARTE0_ENABLE 8
#define UARTE0_BAUDRATE 0x00275000
#define UARTE0_CONFIG 0x0000000E
#define UARTE0_PSEL_TXD 0x80000006
#define TIMER0_PRESCALER 9
#define TIMER0_CC0 FAST
#define NOT_A_REGISTER 1
#endif
