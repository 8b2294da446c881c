extends Node

var held: Variant
