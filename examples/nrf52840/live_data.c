/*
 * Firmware of the "Live data" tab: the variables the tab shows, by symbol.
 * The build compiles this file into live_data.elf beside the description;
 * on a board, the same names come from the real firmware's ELF file.
 */
volatile unsigned int adc_raw = 512;          /* last ADC conversion, 0..4095 */
volatile unsigned int fan_speed = 1800;       /* rpm */
volatile unsigned int board_temperature = 41; /* degrees Celsius */
volatile unsigned int led_duty = 25;          /* percent, written by the form */
volatile unsigned char trace_buffer[16];      /* raw bytes, read whole */

void _start(void)
{
    for (;;) {
        adc_raw = (adc_raw + 37) & 4095;
        fan_speed = 1500 + (adc_raw >> 2);
        board_temperature = 35 + (adc_raw >> 8);
        trace_buffer[adc_raw & 15] = (unsigned char)led_duty;
    }
}
