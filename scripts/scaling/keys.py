"""Who may write into the object store, and where everybody may read."""

KEY, SECRET = "lab:camera", "simulated"
PUBLIC = "/v1/AUTH_lab"  # where plain HTTP finds the buckets of the account


def rclone(endpoint):
    """The environment in which rclone has the store as "store:"."""
    options = {"TYPE": "s3", "PROVIDER": "Other", "ACCESS_KEY_ID": KEY, "SECRET_ACCESS_KEY": SECRET,
               "ENDPOINT": endpoint, "REGION": "us-east-1", "BUCKET_ACL": "public-read"}
    return {"RCLONE_CONFIG": "/dev/null",
            **{f"RCLONE_CONFIG_STORE_{name}": value for name, value in options.items()}}
