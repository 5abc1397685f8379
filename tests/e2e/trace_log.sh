# The module's log tells an acquisition line by line, and there is none unless it is asked for.
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/support/pictures.sh"
e2e_begin
log=$E2E_DRIVE_C/ZYRTWAIN.Log
make_images "$E2E_DRIVE_C/images" 1 --size 100x150

e2e_settings ReturnImmediatelyIfAvailable=1 Logging=0 'ScanToPath=C:\ZYRTwain'
fill_cache "$E2E_DRIVE_C/images"
acquire --depth 16 >"$E2E_OUT.txt" || e2e_fail "without a log: status $?"
[ ! -e "$log" ] || e2e_fail "a log without Logging"

e2e_settings Logging=1
fill_cache "$E2E_DRIVE_C/images"
acquire --depth 16 --count 1 >"$E2E_OUT.txt" || e2e_fail "with a log: status $?"
[ -e "$log" ] || e2e_fail "no log with Logging"

# Every line but the first and the last few is a time stamp of 15 characters and a text; lines end in CR LF.
[ "$(grep -c $'\r$' "$log")" -eq "$(wc -l <"$log")" ] || e2e_fail "lines without CR LF"
text=$(tr -d '\r' <"$log" | grep -E '^[0-9]{2}:[0-9]{2}:[0-9]{2}:[0-9]{4}  ' | cut -c 16-)

# expect_lines: each line of the input stands in the log, in this order; other lines may stand between.
expect_lines() {
  local wanted rest=$text
  while IFS= read -r wanted; do
    grep -qxF -- "$wanted" <<<"$rest" || e2e_fail "not in the log, or too early: '$wanted'"
    rest=$(awk -v wanted="$wanted" 'found { print } $0 == wanted { found = 1 }' <<<"$rest")
  done
}

expect_lines <<'TEXT'
Dispatch (State = 3): DG_CONTROL / DAT_IDENTITY / MSG_OPENDS
Calling Application:
     ProtocolMajor = 1
     ProtocolMinor = 9
     ProductName = zyracquire
Adding Capability: CAP_FEEDERENABLED
Adding Capability: CAP_AUTHOR
Set16BitGrayscaleCapture: Grayscale set to 16-bit.
Default Twain Options
             CAP_SUPPORTEDCAPS: 24 capabilities specified
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 4
Dispatch (State = 4): DG_CONTROL / DAT_CAPABILITY / MSG_SET
HandleCapMessage: ICAP_XFERMECH  MSG_SET
   Container Type: OneValue
   Value Set To: Native
     TWRC_SUCCESS / TWCC_SUCCESS
HandleCapMessage: ICAP_BITDEPTH  MSG_SET
      Current bit depth: Grayscale
      Bit depth specified: Grayscale 16
   Value Set To: Grayscale (16)
HandleCapMessage: CAP_XFERCOUNT  MSG_SET
   Value Set To: 1
Dispatch (State = 4): DG_CONTROL / DAT_USERINTERFACE / MSG_ENABLEDS
Current TWAIN settings:
EnableDS -> TWRC_SUCCESS
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 5
NotifyXferReady
Dispatch (State = 6): DG_IMAGE / DAT_IMAGEINFO / MSG_GET
   Returned Image Info
      Image Size: (100, 150)
      Bits Per Pixel: 16
Dispatch (State = 6): DG_IMAGE / DAT_IMAGELAYOUT / MSG_GET
Dispatch (State = 6): DG_IMAGE / DAT_IMAGENATIVEXFER / MSG_GET
DISPATCHMSG_ImageNativeXfer
    Converting to 16-bit HDIB
   twRC = TWRC_XFERDONE  CC = TWCC_SUCCESS
   RC = TWRC_XFERDONE  CC = TWCC_SUCCESS  State = 7
Dispatch (State = 7): DG_CONTROL / DAT_PENDINGXFERS / MSG_ENDXFER
Current scanned image cleared
GetNumberOfTransfersAvailable() = 0 <=> returning 0
Posting auto close message
NotifyCloseDSReq
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 5
Dispatch (State = 5): DG_CONTROL / DAT_USERINTERFACE / MSG_DISABLEDS
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 4
Dispatch (State = 4): DG_CONTROL / DAT_IDENTITY / MSG_CLOSEDS
   RC = TWRC_SUCCESS  CC = TWCC_SUCCESS  State = 3
TEXT
grep -q 'Logging closed @ ' "$log" || e2e_fail "the log has no end"
