extends SCSetGravityAction
## Change gravity for one character or physics body: lighter for a feather or the moon, heavier for a stomp, none
## for floating, or upside down to walk on the ceiling. It stays so until another Set Gravity changes it, unless it
## is put back.
