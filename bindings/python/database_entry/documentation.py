"""What help() says of classes and fields. Units and shapes are here; types come from the records themselves."""

CLASSES = {}
FIELDS = {}
