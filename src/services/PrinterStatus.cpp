#include "services/PrinterStatus.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(PrinterStatusEnum) {
  static const Enumeration table =
      DeclareEnumeration<PrinterStatusEnum>(u"PrinterStatusEnum",
                                            u"The state of a printer, bit by bit; 0: ready.")
          .Value(u"PRINTER_STATUS_PAUSED", PRINTER_STATUS_PAUSED, u"Paused.")
          .Value(u"PRINTER_STATUS_ERROR", PRINTER_STATUS_ERROR, u"In an error.")
          .Value(u"PRINTER_STATUS_PENDING_DELETION", PRINTER_STATUS_PENDING_DELETION,
                 u"Being deleted.")
          .Value(u"PRINTER_STATUS_PAPER_JAM", PRINTER_STATUS_PAPER_JAM, u"Paper is jammed.")
          .Value(u"PRINTER_STATUS_PAPER_OUT", PRINTER_STATUS_PAPER_OUT, u"Out of paper.")
          .Value(u"PRINTER_STATUS_MANUAL_FEED", PRINTER_STATUS_MANUAL_FEED,
                 u"Paper must be fed by hand.")
          .Value(u"PRINTER_STATUS_PAPER_PROBLEM", PRINTER_STATUS_PAPER_PROBLEM,
                 u"A problem with the paper.")
          .Value(u"PRINTER_STATUS_OFFLINE", PRINTER_STATUS_OFFLINE, u"Offline.")
          .Value(u"PRINTER_STATUS_IO_ACTIVE", PRINTER_STATUS_IO_ACTIVE, u"Sending or receiving.")
          .Value(u"PRINTER_STATUS_BUSY", PRINTER_STATUS_BUSY, u"Busy.")
          .Value(u"PRINTER_STATUS_PRINTING", PRINTER_STATUS_PRINTING, u"Printing.")
          .Value(u"PRINTER_STATUS_OUTPUT_BIN_FULL", PRINTER_STATUS_OUTPUT_BIN_FULL,
                 u"The output bin is full.")
          .Value(u"PRINTER_STATUS_NOT_AVAILABLE", PRINTER_STATUS_NOT_AVAILABLE, u"Not available.")
          .Value(u"PRINTER_STATUS_WAITING", PRINTER_STATUS_WAITING, u"Waiting.")
          .Value(u"PRINTER_STATUS_PROCESSING", PRINTER_STATUS_PROCESSING, u"Processing a document.")
          .Value(u"PRINTER_STATUS_INITIALIZING", PRINTER_STATUS_INITIALIZING,
                 u"Starting; the bit in a status is 32768 alone.")
          .Value(u"PRINTER_STATUS_WARMING_UP", PRINTER_STATUS_WARMING_UP, u"Warming up.")
          .Value(u"PRINTER_STATUS_TONER_LOW", PRINTER_STATUS_TONER_LOW, u"Low on toner.")
          .Value(u"PRINTER_STATUS_NO_TONER", PRINTER_STATUS_NO_TONER, u"Out of toner.")
          .Value(u"PRINTER_STATUS_PAGE_PUNT", PRINTER_STATUS_PAGE_PUNT,
                 u"The current page can't be printed.")
          .Value(u"PRINTER_STATUS_USER_INTERVENTION", PRINTER_STATUS_USER_INTERVENTION,
                 u"Somebody must attend to it.")
          .Value(u"PRINTER_STATUS_OUT_OF_MEMORY", PRINTER_STATUS_OUT_OF_MEMORY, u"Out of memory.")
          .Value(u"PRINTER_STATUS_DOOR_OPEN", PRINTER_STATUS_DOOR_OPEN, u"A door is open.")
          .Value(u"PRINTER_STATUS_SERVER_UNKNOWN", PRINTER_STATUS_SERVER_UNKNOWN,
                 u"Its server's state is unknown.")
          .Value(u"PRINTER_STATUS_POWER_SAVE", PRINTER_STATUS_POWER_SAVE, u"Saving power.");
  return table;
}

}  // namespace veldmark
