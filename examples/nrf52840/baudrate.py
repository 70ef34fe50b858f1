# UARTE0 of the nRF52840 divides its 16 MHz clock by a 32-bit fraction:
# BAUDRATE = baud * 2^32 / 16 MHz, of which the hardware uses the upper 20
# bits. The form's list holds Nordic's tuned values; this script computes
# the register for any rate, shows it, and picks the nearest listed rate.
# Run by the "Compute in Python" button (a runScript action "python:baudrate.py").

LISTED = {
    9600: 0x00275000, 19200: 0x004EA000, 38400: 0x009D0000, 57600: 0x00EB0000,
    115200: 0x01D60000, 230400: 0x03B00000, 460800: 0x07400000,
    921600: 0x0F000000, 1000000: 0x10000000,
}

baud = PY_BAUD.value
register = (round(baud * (1 << 32) / 16000000) + 0x800) & 0xFFFFF000
actual = register * 16000000 / (1 << 32)
nearest = min(LISTED, key=lambda rate: abs(rate - baud))

# Through the element itself: setDef would turn the hex text into a number.
PY_BAUDREG.setText("0x%08X" % register)
application.setDef("PY_NEAREST=%d Bd" % nearest)
application.setDef("UARTE0.BAUDRATE.BAUDRATE=0x%08X" % LISTED[nearest])
print("%d Bd: BAUDRATE 0x%08X gives %.0f Bd (%+.2f %%); UART set to %d Bd"
      % (baud, register, actual, (actual - baud) * 100.0 / baud, nearest))
