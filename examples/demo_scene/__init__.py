"""What examples/make-demo-scene is made of: shapes, pictures, and a writer of glTF files."""
