extends SCPickItemAction
## Choose an item at random for a pedestal, a chest or a shop shelf. It counts as having turned up, so that it does
## not turn up again in this run.
