extends SCInWaterCondition
## True while someone is in the water, as deep as you choose.
